# FOLIOSCOPE_WINE32: the 32-bit Wine that runs the i686 programs, in a 32-bit
# prefix (WINEARCH=win32). Debian's wine32 package where it is installed;
# else the one that scripts/wine32-root.sh unpacks into build/wine32-root
# (scripts/install-deps.sh makes it). The path is set even when neither is
# there yet, so that the 32-bit tests fail rather than vanish.
if(NOT FOLIOSCOPE_WINE32)
  if(EXISTS /usr/lib/wine/wine)
    set(FOLIOSCOPE_WINE32 /usr/lib/wine/wine)
  else()
    set(FOLIOSCOPE_WINE32 ${CMAKE_SOURCE_DIR}/build/wine32-root/bin/wine)
  endif()
endif()
