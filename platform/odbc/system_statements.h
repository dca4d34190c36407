// The system's own statements, as their literals leave them: the shapes by which a dialect finds
// what its engine takes instead. Their spelling, blanks included, is the system's.
#pragma once

#include <string_view>

namespace velk::shape {

inline constexpr std::string_view openingDate = "SELECT TOP 1 OpeningDate FROM Setup";
inline constexpr std::string_view now = "SELECT GETDATE()";
inline constexpr std::string_view customerExists =
    "select count(*) from Customer where CustomerID=N?";
inline constexpr std::string_view vendorExists = "select count(*) from Vendors where VendorID=?";
inline constexpr std::string_view dsType =
    "Select Active From DsType_Master Where DSTypeName = ? and DSTypeValue = ? and DSTypeCtlPos = "
    "1 and OCGtype = (Select flag from tbl_velk_Configabstract where ScreenCode = ? and "
    "ScreenName =?) ";
inline constexpr std::string_view salesmen =
    "select S.Salesman_name,Address,ResidentialNUmber,MobileNumber,(select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID  and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=1),isnull((select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID  and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=2),?) from Salesman S order by Salesman_name";

}  // namespace velk::shape

/// What engines take that follow the standard where the system does not.
namespace velk::standard {

inline constexpr std::string_view openingDate = "SELECT OpeningDate FROM Setup LIMIT 1";
inline constexpr std::string_view customerExists =
    "select count(*) from Customer where CustomerID=?";
inline constexpr std::string_view dsType =
    "Select Active From DsType_Master Where DSTypeName = ? and DSTypeValue = ? and DSTypeCtlPos = "
    "1 and OCGtype = (Select flag from tbl_velk_Configabstract where ScreenCode = ? and "
    "ScreenName = ?)";
inline constexpr std::string_view salesmen =
    "select S.Salesman_name,Address,ResidentialNUmber,MobileNumber,(select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=1),coalesce((select DM.DSTypeValue from "
    "DSType_Master DM,DStype_Details DD where DD.DSTypeID=DM.DSTypeID and "
    "DD.SalesmanID=S.SalesmanID and DM.DSTypeCtlPos=2),?) from Salesman S order by Salesman_name";

}  // namespace velk::standard
