#include "mapping/opening_screen.h"

#include <utility>

namespace velk {

OpeningScreen::OpeningScreen(Velk_ModOpnImp& module, const OpeningScreenKind& kind,
                             std::unique_ptr<ImportButton> import)
    : ImportScreen(module, kind.name, kind.caption, kind.mappingListName, kind.rules),
      kind_(kind),
      import_(std::move(import)) {
  setFields(kind.fields);
}

// The screen is shown before it is painted in the company's colours: a slow query must not keep it
// from appearing.
void OpeningScreen::setUp(std::shared_ptr<Connection> myConn) {
  if (!kind_.secondTitleKey.empty()) {
    mappingList.setTitle(
        1, toText(module().hostService().caption("Vorel", "Label", kind_.secondTitleKey)));
  }
  loadNotYetCaption();
  show();
  keepConnection(std::move(myConn));
  InitLoadColors();
  paint();
  if (kind_.hiddenField) mappingList.setWidth(*kind_.hiddenField, 0);
}

void OpeningScreen::setUpDialog() {
  CommonDialog1.set(Property::Filter, "CSV files (*.csv)|*.csv|All files (*.*)|*.*");
}

}  // namespace velk
