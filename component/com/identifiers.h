// The names under which hosts find the component. The identifiers themselves are in the IDL.
#pragma once

namespace velk {

inline constexpr wchar_t programmaticName[] = L"Velk_OpnImp.Velk_ClsOpnImp";
inline constexpr wchar_t libraryTitle[] = L"Opening data import";
/// The type library's version, and the class's.
inline constexpr wchar_t versionText[] = L"1.0";

}  // namespace velk
