// Numbers that the main window shares with its resources.
#pragma once

// The resource compiler knows macros only. NOLINTBEGIN(*-macro-usage)

#define HOST_RESOURCE 1  // menu, keys and icon

// In the order of ImportScreenKind, without gaps.
#define CUSTOMER_COMMAND 100
#define VENDOR_COMMAND 101
#define MASTERS_COMMAND 102

#define ERROR_LOG_COMMAND 110
#define REFRESH_COMMAND 111
#define EXIT_COMMAND 112
#define TABLE_CHOICE 120

// NOLINTEND(*-macro-usage)
