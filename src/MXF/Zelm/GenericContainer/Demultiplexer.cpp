#include "MXF/Zelm/GenericContainer/Demultiplexer.h"

#include <utility>

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

void Demultiplexer::add(KLV::Key const& key, std::uint64_t offset, std::uint32_t headLength,
                        std::uint64_t length, DataIO::Chain data) {
    bool const content = ElementKey::isContent(key);
    if (boundary_.empty()) {
        if (!content)
            return;
        package_.offset = offset;
    }
    package_.length += headLength + length;
    if (!content)
        return;
    ElementKey const elementKey(key);
    boundary_.add(elementKey);
    auto& list = elementKey.isSystem() ? package_.systemItems : package_.elements;
    list.push_back({key, offset, headLength, length, std::move(data)});
}

void Demultiplexer::clear() {
    package_.clear();
    boundary_.clear();
}

} // namespace MXF::Zelm::GenericContainer
