#include "platform/native/native_privacy.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <array>
#include <memory>

#include "platform/native/native_shell.h"
#include "platform/native/native_user.h"
#include "platform/windows/handles.h"
#include "platform/windows/wide_text.h"

namespace velk {

namespace {

struct FreeLocal {
  void operator()(void* memory) const { LocalFree(memory); }
};

bool isOf(PSID who, WELL_KNOWN_SID_TYPE group) {
  return IsWellKnownSid(who, group) != FALSE;
}

/// As whom this process acts.
class UserId {
 public:
  UserId() {
    HANDLE opened = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == FALSE) return;
    const FileHandle token(opened);
    DWORD size = 0;
    if (GetTokenInformation(token.get(), TokenUser, &user_, sizeof user_, &size) == FALSE) {
      user_.user.User.Sid = nullptr;
    }
  }
  /// Null where it is not known.
  PSID get() const { return user_.user.User.Sid; }

 private:
  union {
    TOKEN_USER user;
    std::array<BYTE, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> room;
  } user_{};
};

/// The administrators, the system, the owner, by whichever name, and the user, who is not the owner
/// of what he makes as an administrator.
bool mayKnow(PSID who, PSID owner) {
  const UserId user;
  return EqualSid(who, owner) != FALSE ||
         (user.get() != nullptr && EqualSid(who, user.get()) != FALSE) ||
         isOf(who, WinLocalSystemSid) || isOf(who, WinBuiltinAdministratorsSid) ||
         isOf(who, WinCreatorOwnerSid) || isOf(who, WinCreatorOwnerRightsSid);
}

/// Of a list of rights, the entry of that number gives others some right.
bool letsOthers(PACL list, DWORD number, PSID owner) {
  void* entry = nullptr;
  if (GetAce(list, number, &entry) == FALSE) return true;
  auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
  if (allowed->Header.AceType == ACCESS_DENIED_ACE_TYPE) return false;
  if ((allowed->Header.AceFlags & INHERIT_ONLY_ACE) != 0) return false;
  // Other kinds of entries than the plain one are not looked into.
  if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE) return true;
  constexpr DWORD rights = FILE_READ_DATA | FILE_WRITE_DATA | WRITE_DAC | WRITE_OWNER |
                           GENERIC_READ | GENERIC_WRITE | GENERIC_ALL;
  return (allowed->Mask & rights) != 0 && !mayKnow(&allowed->SidStart, owner);
}

}  // namespace

// What cannot be found out counts as a right of others.
bool othersMayRead(const std::string& path) {
  std::wstring name = toWide(path);
  PSID owner = nullptr;
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  const DWORD failure = GetNamedSecurityInfoW(
      name.data(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner,
      nullptr, &list, nullptr, &descriptor);
  const std::unique_ptr<void, FreeLocal> kept(descriptor);
  if (failure != ERROR_SUCCESS || list == nullptr) return true;  // without a list everybody may
  for (DWORD number = 0; number < list->AceCount; ++number) {
    if (letsOthers(list, number, owner)) return true;
  }
  return false;
}

// A list of its own with one entry: the user may do all, also with what is in a folder.
void makePrivate(const std::string& path) {
  const UserId user;
  wchar_t* text = nullptr;
  if (user.get() == nullptr || ConvertSidToStringSidW(user.get(), &text) == FALSE) return;
  const std::unique_ptr<void, FreeLocal> keptText(text);
  const std::wstring onlyUser = std::wstring(L"D:P(A;OICI;FA;;;") + text + L')';
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (ConvertStringSecurityDescriptorToSecurityDescriptorW(onlyUser.c_str(), SDDL_REVISION_1,
                                                           &descriptor, nullptr) == FALSE) {
    return;
  }
  const std::unique_ptr<void, FreeLocal> kept(descriptor);
  SetFileSecurityW(toWide(path).c_str(),
                   DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, descriptor);
}

std::string commandToKeepPrivate(const std::string& path) {
  const std::string rights = userName() + ":F";
  return "icacls " + shellWord(path).value_or("FILE") + " /inheritance:r /grant:r " +
         shellWord(rights).value_or("USER:F");
}

}  // namespace velk
