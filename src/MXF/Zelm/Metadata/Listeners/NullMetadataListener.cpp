#include "MXF/Zelm/Metadata/Listeners/NullMetadataListener.h"

namespace MXF::Zelm::Metadata::Listeners {

CommitableListener::~CommitableListener() = default;
NullMetadataListener::~NullMetadataListener() = default;
NullCommitableListener::~NullCommitableListener() = default;
void NullCommitableListener::commit() {}

} // namespace MXF::Zelm::Metadata::Listeners
