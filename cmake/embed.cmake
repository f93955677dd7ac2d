# embed(ROOM NAME FILE): embeds a file in the room's library as `const std::string_view NAME`, which a
# header of the room declares.
function(embed room name file)
  set(source ${CMAKE_BINARY_DIR}/embedded/${name}.cpp)
  set_property(DIRECTORY ${CMAKE_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
               ${CMAKE_SOURCE_DIR}/${file})
  file(READ ${CMAKE_SOURCE_DIR}/${file} bytes HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${bytes}")
  file(CONFIGURE OUTPUT ${source} CONTENT
"#include <string_view>

namespace vgps {
namespace {
constexpr char kBytes[] = {@bytes@};
}
extern const std::string_view @name@;
const std::string_view @name@{kBytes, sizeof kBytes};
}
" @ONLY)
  target_of(target ${room})
  target_sources(${target} PRIVATE ${source})
  set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
