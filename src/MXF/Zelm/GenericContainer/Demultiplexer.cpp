#include "MXF/Zelm/GenericContainer/Demultiplexer.h"

namespace MXF::Zelm::GenericContainer {

Element const* ContentPackage::element(std::uint32_t trackNumber) const {
    Element const* similar = nullptr;
    for (auto const* const list : {&elements, &systemItems})
        for (auto const& element : *list) {
            if (element.trackNumber() == trackNumber)
                return &element;
            if (similar == nullptr && element.elementKey().isSameElement(ElementKey(trackNumber)))
                similar = &element;
        }
    return similar;
}

void ContentPackage::clear() {
    offset = length = 0;
    systemItems.clear();
    elements.clear();
}

Element* Demultiplexer::add(KLV::Key const& key, std::uint64_t offset, std::uint32_t headLength,
                            std::uint64_t length) {
    bool const isContent = ElementKey::isContent(key);
    if (boundary_.empty()) {
        if (!isContent)
            return nullptr;
        package_.offset = offset;
    }
    package_.length += headLength + length;
    if (!isContent)
        return nullptr;
    ElementKey const elementKey(key);
    boundary_.add(elementKey);
    Element& element = (elementKey.isSystem() ? package_.systemItems : package_.elements).emplace_back();
    element.key = key;
    element.offset = offset;
    element.headLength = headLength;
    element.length = length;
    return &element;
}

void Demultiplexer::clear() {
    package_.clear();
    boundary_.clear();
}

} // namespace MXF::Zelm::GenericContainer
