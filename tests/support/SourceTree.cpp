#include "tests/support/SourceTree.h"

namespace TestSupport {

std::string sourcePath(std::string_view below) { return std::string(NTA_SOURCE_DIR "/").append(below); }

}  // namespace TestSupport
