// The component in the registry.
#pragma once

#include <string_view>

namespace velk {

/// Registers class, programmatic name, interface and type library: for the machine when the user
/// may, else for the user. Raises what the registry refuses, as an HRESULT of Win32, and leaves
/// nothing half registered.
void registerServer();

/// Removes all of it, for machine and user. What the server of the other bitness shares stays as
/// long as that is registered.
void unregisterServer();

/// The same for "user" or "machine" alone, as installers ask that know for whom they are. Any other
/// scope raises E_INVALIDARG.
void registerServer(std::wstring_view scope);
void unregisterServer(std::wstring_view scope);

}  // namespace velk
