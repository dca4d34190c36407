// The customer opening balance screen.
#pragma once

#include "mapping/opening_screen.h"

namespace velk {

class Velk_frmCustOpn_OpnImp final : public OpeningScreen {
 public:
  Velk_frmCustOpn_OpnImp(Velk_ModOpnImp& module, std::unique_ptr<ImportButton> import);

  ListView& lstCust = mappingList;
};

}  // namespace velk
