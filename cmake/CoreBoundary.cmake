# The core stays free of any toolkit or window system: it links nothing but
# the standard library, nlohmann-json and OpenSSL, and none of its sources
# includes Qt, X11 or xcb headers. A breach stops the configure step.
get_target_property(core_links tarnwick_core LINK_LIBRARIES)
foreach(lib ${core_links})
  if(lib MATCHES "Qt|X11|xcb")
    message(FATAL_ERROR "tarnwick_core links ${lib}; the core reaches the machine only through the ports in ports/")
  endif()
endforeach()
get_target_property(core_sources tarnwick_core SOURCES)
foreach(src ${core_sources})
  file(STRINGS ${src} includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"](Q[A-Za-z]|qt|X11/|xcb/)")
  if(includes)
    message(FATAL_ERROR "${src} includes ${includes}; the core may not use Qt, X11 or xcb")
  endif()
endforeach()
