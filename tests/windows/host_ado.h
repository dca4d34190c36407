// A new sample company, used through the host's ADO objects.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "apps/host/ado/ado_command_object.h"
#include "apps/host/ado/ado_connection_object.h"
#include "apps/host/class_registration.h"
#include "platform/odbc/odbc_connection.h"
#include "platform/windows/ado_connection.h"
#include "samples/company/sample_company.h"

namespace velk {

struct HostAdo {
  HostAdo() {
    const auto path = std::filesystem::temp_directory_path() / "host_ado_test.db";
    for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path.string() + suffix);
    createSampleCompany(path.string());
    object = connectionObject(openOdbc(embeddedConnectionString(path.string())));
    database = adoConnection(object.Get());
  }

  ClassRegistration commands{__uuidof(::Command), [] { return commandObject(); }};
  ComPtr<_Connection> object;
  std::shared_ptr<Connection> database;
};

}  // namespace velk
