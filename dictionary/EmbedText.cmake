# Writes the C++ file OUTPUT with the function std::string_view MXF::ZelmDictionary::FUNCTION() that returns the
# text of INPUT. Run at build time: cmake -DINPUT=… -DOUTPUT=… -DFUNCTION=… -P EmbedText.cmake
file(READ "${INPUT}" text)
if(text MATCHES "\\)text\"")
    message(FATAL_ERROR "${INPUT} holds the mark that ends a raw string")
endif()
get_filename_component(name "${INPUT}" NAME)
file(WRITE "${OUTPUT}" "// Made from ${name} by EmbedText.cmake.
#include \"Texts.h\"

#if defined(__clang__)
#pragma clang diagnostic ignored \"-Woverlength-strings\"
#endif

namespace MXF::ZelmDictionary {

namespace {
constexpr char bytes[] = R\"text(${text})text\";
} // namespace

std::string_view ${FUNCTION}() { return {bytes, sizeof bytes - 1}; }

} // namespace MXF::ZelmDictionary
")
