# Writes OUTPUT, a source file that holds the texts of SCRIPTS in the order of their names.
list(SORT SCRIPTS)
set(source "#include \"samples/company/sample_company.h\"\n\nnamespace velk {\nnamespace {\n\n")
string(APPEND source "constexpr Script scripts[] = {\n")
foreach(script IN LISTS SCRIPTS)
  get_filename_component(name ${script} NAME)
  file(READ ${script} text)
  string(APPEND source "    {\"${name}\", R\"script(${text})script\"},\n")
endforeach()
string(APPEND source "};\n\n}  // namespace\n\n")
string(APPEND source
  "std::span<const Script> sampleCompanyScripts() { return scripts; }\n\n}  // namespace velk\n")
file(WRITE ${OUTPUT} "${source}")
