#include "MXF/Zelm/GenericContainer/EssenceAnalyzer.h"

namespace MXF::Zelm::GenericContainer {

EssenceAnalyzer::~EssenceAnalyzer() = default;

std::optional<std::uint64_t> EssenceAnalyzer::byteCount() const { return std::nullopt; }

KLV::Key EssenceAnalyzer::proposeKey(KLV::Key const& key) const { return key; }

void EssenceAnalyzer::customizeDescriptor(Metadata::Structural::FileDescriptor& /*descriptor*/) const {}

void EssenceAnalyzer::setDuration(Templates::Rational<int> const& seconds) { duration_ = seconds; }

Templates::Rational<int> EssenceAnalyzer::getDuration() const { return duration_; }

EssenceAnalyzer::EssenceAnalyzerType SystemAnalyzer::essenceAnalyzerType() const {
    return EssenceAnalyzer::SystemAnalyzer;
}

EssenceAnalyzer::EssenceAnalyzerType CompoundAnalyzer::essenceAnalyzerType() const {
    return EssenceAnalyzer::CompoundAnalyzer;
}

EssenceAnalyzer::EssenceAnalyzerType PictureAnalyzer::essenceAnalyzerType() const {
    return EssenceAnalyzer::PictureAnalyzer;
}

EssenceAnalyzer::EssenceAnalyzerType SoundAnalyzer::essenceAnalyzerType() const {
    return EssenceAnalyzer::SoundAnalyzer;
}

EssenceAnalyzer::EssenceAnalyzerType DataAnalyzer::essenceAnalyzerType() const {
    return EssenceAnalyzer::DataAnalyzer;
}

} // namespace MXF::Zelm::GenericContainer
