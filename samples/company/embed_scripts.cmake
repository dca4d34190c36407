# Writes OUTPUT, a source file with the texts of SCRIPTS in the order of their names, without comments:
# the driver would take the quotation marks and semicolons in them for the statement's.
list(SORT SCRIPTS)
set(source "#include \"samples/company/sample_company.h\"\n\nnamespace velk {\nnamespace {\n\n")
string(APPEND source "constexpr Script scripts[] = {\n")
foreach(script IN LISTS SCRIPTS)
  get_filename_component(name ${script} NAME)
  file(READ ${script} text)
  string(REGEX REPLACE " *--[^\n]*" "" text "${text}")
  string(APPEND source "    {\"${name}\", R\"script(${text})script\"},\n")
endforeach()
string(APPEND source "};\n\n}  // namespace\n\n")
string(APPEND source
  "std::span<const Script> sampleCompanyScripts() { return scripts; }\n\n}  // namespace velk\n")
file(WRITE ${OUTPUT} "${source}")
