# restrict_exports(TARGET MAP): the shared object shows the names of the version script and nothing else. Hidden
# visibility alone still exports the standard library's weak templates.
function(restrict_exports target map)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${map}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()
