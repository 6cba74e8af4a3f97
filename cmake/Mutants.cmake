# Included by scripts/mutate, to build changed sources as fast as possible.

# Precompiles external headers. The files that instantiate the readers and writers for all classes
# are compiled as one, since they share nearly all of that.
function(filter_common_quickly)
  target_precompile_headers(filter_common PRIVATE
    <filter_groups.pb.h> <policer_common.h> <limidmgr_decode.h> <arpa/inet.h> <netinet/ether.h>
    <algorithm> <array> <functional> <iomanip> <iterator> <list> <map> <memory> <ostream> <set>
    <sstream> <string> <string_view> <tuple> <vector>)
  get_target_property(generated filter_common SOURCES)
  list(FILTER generated INCLUDE REGEX "pb[.]cc$")
  set_source_files_properties(${generated} TARGET_DIRECTORY filter_common
    PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  file(GLOB wire ${PROJECT_SOURCE_DIR}/src/*_pb.cpp)
  set_source_files_properties(${wire} TARGET_DIRECTORY filter_common PROPERTIES UNITY_GROUP wire)
  set_target_properties(filter_common PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
if(PROJECT_IS_TOP_LEVEL)
  cmake_language(DEFER CALL filter_common_quickly)
endif()
