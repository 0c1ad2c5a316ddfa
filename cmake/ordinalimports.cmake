# The print ticket provider, imported by ordinal: add_ordinal_imports(NAME FILE.def) makes a library that links
# what the .def file lists.
function(add_ordinal_imports name def)
    get_filename_component(def ${def} ABSOLUTE)
    set(library ${CMAKE_CURRENT_BINARY_DIR}/lib${name}.a)
    if(MSVC)
        set(library ${CMAKE_CURRENT_BINARY_DIR}/${name}.lib)
        set(make_library ${CMAKE_AR} /nologo /machine:x64 /def:${def} /out:${library})
    else()
        # dlltool makes symbols of the library's name as it is given.
        set(make_library ${CMAKE_DLLTOOL} -d ${def} -l lib${name}.a)
    endif()
    add_custom_command(OUTPUT ${library} COMMAND ${make_library} DEPENDS ${def}
                       WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} VERBATIM)
    add_custom_target(${name}_library DEPENDS ${library})
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${library})
    add_dependencies(${name} ${name}_library)
endfunction()
