# The library `geodesic`: GeographicLib's geodesics on the ellipsoid. It is linked statically,
# so that the program needs nothing at run time; for Windows its five sources are compiled.
if(NOT WIN32)
  find_path(GEODESIC_INCLUDE GeographicLib/PolygonArea.hpp)
  find_library(GEODESIC_LIBRARY NAMES libGeographicLib.a)
  if(NOT GEODESIC_INCLUDE OR NOT GEODESIC_LIBRARY)
    message(FATAL_ERROR "GeographicLib is missing: run ./vexa build, it installs it")
  endif()
  add_library(geodesic INTERFACE)
  target_link_libraries(geodesic INTERFACE ${GEODESIC_LIBRARY})
  return()
endif()

set(G ${CMAKE_BINARY_DIR}/sources/geographiclib)
execute_process(COMMAND ${CMAKE_SOURCE_DIR}/cmake/get-source.sh ${G} geographiclib
  RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "the sources of GeographicLib could not be fetched through apt")
endif()
file(CONFIGURE OUTPUT ${G}/include/GeographicLib/Config.h CONTENT
"#define GEOGRAPHICLIB_VERSION_STRING \"2.1.2\"
#define GEOGRAPHICLIB_VERSION_MAJOR 2
#define GEOGRAPHICLIB_VERSION_MINOR 1
#define GEOGRAPHICLIB_VERSION_PATCH 2
#define GEOGRAPHICLIB_HAVE_LONG_DOUBLE 1
#define GEOGRAPHICLIB_WORDS_BIGENDIAN 0
#define GEOGRAPHICLIB_PRECISION 2
#define GEOGRAPHICLIB_SHARED_LIB 0
")
# Disables areas with other kinds of lines, which would need eight more sources.
file(READ ${G}/src/PolygonArea.cpp text)
string(REGEX REPLACE "template class [A-Z_]+ PolygonAreaT<(GeodesicExact|Rhumb)>;" "" text "${text}")
file(CONFIGURE OUTPUT ${G}/PolygonArea.cpp CONTENT "${text}" @ONLY)
add_library(geodesic STATIC ${G}/src/Geodesic.cpp ${G}/src/GeodesicLine.cpp ${G}/src/Math.cpp
  ${G}/PolygonArea.cpp ${G}/src/Accumulator.cpp)
target_compile_options(geodesic PRIVATE -w)
target_include_directories(geodesic SYSTEM PUBLIC ${G}/include)
