# Writes OUTPUT: for each of the INTERFACES that the header INPUT declares, a base class Unused<Name>
# whose members all answer E_NOTIMPL. An object derives from it and overrides what it has; so the
# layout of each interface is the interface compiler's.
file(READ ${INPUT} header)

function(write_unused name)
  set(members "")
  set(level ${name})
  while(NOT level STREQUAL "IDispatch")
    if(NOT header MATCHES "\n${level} : public ([A-Za-z0-9_]+)\n{([^}]*)}")
      message(FATAL_ERROR "${INPUT} does not declare ${level}")
    endif()
    set(level ${CMAKE_MATCH_1})
    string(PREPEND members "${CMAKE_MATCH_2}")
  endwhile()
  string(REGEX REPLACE " = 0;" " noexcept override { return E_NOTIMPL; }" members "${members}")
  string(REGEX REPLACE " = [^,)]+" "" members "${members}")  # default arguments
  string(REGEX REPLACE "virtual " "" members "${members}")
  string(REGEX REPLACE "^_" "" name ${name})
  set(unused "${unused}template <class Base>\nstruct Unused${name} : Base {${dispatch}${members}};\n"
      PARENT_SCOPE)
endfunction()

set(dispatch "
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override {
      return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID,
                                            DISPID*) noexcept override {
      return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override {
      return E_NOTIMPL;
    }
")
foreach(interface IN LISTS INTERFACES)
  write_unused(${interface})
endforeach()
file(WRITE ${OUTPUT} "#pragma once\nnamespace velk {\n${unused}}\n")
