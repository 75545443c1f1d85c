/// Reads a text of definitions, line by line, in one pass (docs/dictionary-format.md).
#pragma once

#include "Definitions.h"
#include "Words.h"

namespace MXF::ZelmDictionary {

class Loader {
public:
    /// Reads all of `text` into definitions that wait. Throws Exceptions::InvalidFormat with source, line and
    /// cause.
    Loader(Zelm::MetaMetadata::Dictionary& dictionary, std::string_view text, std::string_view sourceName);

    /// Moves the definitions into the dictionary.
    void commit() { definitions_.commit(); }

private:
    using Statement = void (Loader::*)(Words&);

    struct Row {
        std::string_view keyword;
        Statement read;
    };

    static Row const statements[];

    void readLines(std::string_view text);
    void readHeader(Words& words);
    void readStatement(Words& words);
    void readType(Words& words);
    void readValue(Words& words);
    void readElement(Words& words);
    void readClass(Words& words);
    void readExtend(Words& words);
    void readAttribute(Words& words);

    Definitions definitions_;
    unsigned line_ = 0;
    bool hasHeader_ = false;
    TypeDefinition* type_ = nullptr;              ///< whose values follow
    std::uint32_t class_ = ClassDefinition::none; ///< whose attributes follow
};

} // namespace MXF::ZelmDictionary
