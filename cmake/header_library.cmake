# A library of headers only, as an interface target: opnimp_header_library(doctest doctest/doctest.h)
#
# Windows builds get a copy of its folder: /usr/include itself would hide the headers of the cross
# compiler. A system folder, because warnings in there are not ours.
function(opnimp_header_library name header)
  string(TOUPPER ${name}_INCLUDE variable)
  find_path(${variable} ${header} PATHS /usr/include REQUIRED)
  set(include ${${variable}})
  if(WIN32)
    get_filename_component(folder ${header} DIRECTORY)
    file(COPY ${include}/${folder} DESTINATION ${PROJECT_BINARY_DIR}/include)
    set(include ${PROJECT_BINARY_DIR}/include)
  endif()
  add_library(${name} INTERFACE)
  target_include_directories(${name} SYSTEM INTERFACE ${include})
endfunction()
