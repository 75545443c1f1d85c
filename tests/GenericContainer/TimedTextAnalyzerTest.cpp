#include "MXF/Zelm/GenericContainer/Analyzers/TimedTextAnalyzer.h"
#include "MXF/Zelm/DataIO/BufferSliceSource.h"
#include "MXF/Zelm/GenericContainer/ClipWrapper/Wrap.h"
#include "MXF/Zelm/Metadata/Structural/DescriptorKeys.h"
#include "MXF/Zelm/Metadata/Structural/FurtherDescriptors.h"
#include "MXF/Zelm/Metadata/Structural/Sequence.h"
#include "MXF/Zelm/Types/Strings.h"
#include "MXF/ZelmDictionary/Dictionary.h"
#include "support/AnalyzerPackage.h"

namespace MXF::Zelm::Test {

using namespace Metadata::Structural;
using GenericContainer::TimedTextAnalyzer;
using GenericContainer::TimedTextOptions;

TEST(TimedTextAnalyzer, WrapsADocumentAsOneEditUnitOfItsLength) {
    std::string const text = "<tt xmlns='http://www.w3.org/ns/ttml' xml:lang='en' ttp:frameRate='24'>"
                             "<body><p end='100.01s'/></body></tt>";
    TimedTextOptions options;
    auto const id = Types::UUID::generate();
    options.resources.push_back({id, u"image/png", 7});
    auto const analyzer = std::make_shared<TimedTextAnalyzer>(
        std::make_shared<DataIO::BufferSliceSource>(reinterpret_cast<const unsigned char*>(text.data()),
                                                    text.size()),
        options);
    AnalyzerPackage package;
    registerFurtherDescriptors(*ZelmDictionary::standard());
    GenericContainer::ClipWrapper::Wrap wrap(&package.package(), {}, analyzer);
    auto const clip = wrap.commit();
    DataIO::Chain all, part;
    bool mayStart = false;
    GenericContainer::Source::FutureUpdaterPtr updater;
    for (Templates::Rational<std::int64_t> position; clip->next(part, mayStart, updater, position);)
        all.append(part);
    clip->finalize();
    EXPECT_EQ(all.size(), 16 + 9 + text.size());
    auto const segments = clip->takeIndexSegments();
    ASSERT_EQ(segments.size(), 1u);
    EXPECT_EQ(segments.front()->indexDuration(), 1) << "one entry for all of it";

    auto& descriptor = dynamic_cast<FileDescriptor&>(*package.package().descriptor());
    EXPECT_EQ(descriptor.key(), DescriptorKeys::dcTimedTextDescriptor);
    EXPECT_EQ(*descriptor.containerDuration(), 2401);
    EXPECT_EQ(*dynamic_cast<TimelineTrack&>(package.track()).sequence()->duration(), 2401);
    EXPECT_EQ(descriptor.value<Types::UTF16String>(u"NamespaceURI")->toString(),
              u"http://www.w3.org/ns/ttml");
    EXPECT_EQ(descriptor.value<Types::UTF16String>(u"RFC5646LanguageTagList")->toString(), u"en");
    EXPECT_FALSE(descriptor.value<Types::UUID>(u"ResourceID")->isNull());
    ASSERT_EQ(descriptor.subDescriptors().size(), 1u);
    auto const& resource = *descriptor.subDescriptors().front();
    EXPECT_EQ(*resource.value<Types::UUID>(u"AncillaryResourceID"), id);
    EXPECT_EQ(resource.value<Types::UTF16String>(u"MIMEType")->toString(), u"image/png");
    EXPECT_EQ(*resource.value<Types::UInt32>(u"EssenceStreamID"), 7u);
}

} // namespace MXF::Zelm::Test
