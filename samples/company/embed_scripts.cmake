# Writes OUTPUT, a source file with the statements of SCRIPTS, in their order. A semicolon at the end of a line
# ends each statement. Comments are left out: the driver would take the quotation marks and semicolons in
# them for the statement's. So is the N of a literal, which the engine does not know.
set(source "#include \"samples/company/sample_company.h\"\n\nnamespace velk {\nnamespace {\n\n")
string(APPEND source "constexpr std::string_view statements[] = {\n")
foreach(script IN LISTS SCRIPTS)
  file(READ ${script} text)
  string(REGEX REPLACE " *--[^\n]*" "" text "${text}")
  string(REGEX REPLACE "([(= ])N'" "\\1'" text "${text}")
  string(REGEX REPLACE "^\n+|;\n*$" "" text "${text}")
  string(REGEX REPLACE ";\n+" ")script\",\n    R\"script(" text "${text}")
  string(APPEND source "    R\"script(${text})script\",\n")
endforeach()
string(APPEND source "};\n\n}  // namespace\n\n")
string(APPEND source "std::span<const std::string_view> sampleCompanyStatements() {\n")
string(APPEND source "  return statements;\n}\n\n}  // namespace velk\n")
file(WRITE ${OUTPUT} "${source}")
