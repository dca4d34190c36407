#include "mapping/opening_screen.h"

#include <utility>

#include "platform/text.h"

namespace velk {

OpeningScreen::OpeningScreen(Velk_ModOpnImp& module, const OpeningScreenKind& kind,
                             ImportRoutine import)
    : ImportScreen(module, kind.name, kind.caption, kind.mappingListName, kind.rules),
      kind_(kind),
      import_(import) {
  for (const TargetField& field : kind.fields) mappingList.addColumn(field.title, field.width);
}

void OpeningScreen::initForm(std::shared_ptr<Connection> myConn,
                             std::shared_ptr<const Picture> AppIcon) {
  trapRoutine("initForm", [&] {
    HostService& host = module().hostService();
    host.screenStarting(*this);
    setIcon(std::move(AppIcon));
    if (!kind_.secondTitleKey.empty()) {
      mappingList.setTitle(1, toText(host.caption("Vorel", "Label", kind_.secondTitleKey)));
    }
    loadNotYetCaption();
    show();
    keepConnection(std::move(myConn));
    InitLoadColors();
    paint();
    if (kind_.hiddenField) mappingList.setWidth(*kind_.hiddenField, 0);
    host.screenReady(*this, true);
  });
  acceptEvents();
}

void OpeningScreen::setUpDialog() {
  CommonDialog1.set("Filter", "CSV files (*.csv)|*.csv|All files (*.*)|*.*");
}

void OpeningScreen::mapIdenticalNames() {
  module().trapWithLine("Error in Mapping Identical Fields", [this] {
    rebuildMappingList(rules().firstCell.afterAutomaticMapping,
                       static_cast<std::size_t>(RecordCount()));
    for (std::size_t column = 0; column < lv.columnCount(); ++column) mapIfNamed(column);
  });
}

void OpeningScreen::mapIfNamed(std::size_t fileColumn) {
  const std::string name =
      lowerAscii(module().hostService().captionText("Vorel", "Label", trim(lv.title(fileColumn))));
  for (std::size_t field = 0; field < kind_.fields.size(); ++field) {
    const std::string_view automaticName = kind_.fields[field].automaticName;
    if (!automaticName.empty() && name == automaticName) mapColumn(fileColumn, field);
  }
}

}  // namespace velk
