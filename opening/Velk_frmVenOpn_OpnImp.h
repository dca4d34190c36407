// The vendor opening balance screen.
#pragma once

#include "mapping/opening_screen.h"

namespace velk {

class Velk_frmVenOpn_OpnImp final : public OpeningScreen {
 public:
  Velk_frmVenOpn_OpnImp(Velk_ModOpnImp& module, std::unique_ptr<ImportButton> import);

  ListView& lstVen = mappingList;
};

}  // namespace velk
