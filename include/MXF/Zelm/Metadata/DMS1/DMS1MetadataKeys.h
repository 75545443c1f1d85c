/// The keys of the sets of descriptive metadata scheme 1 (SMPTE 380M), by the name of their class. Make such
/// sets with `PartitionMetadata::createMetadataSet`.
#pragma once

#include "MXF/Zelm/KLV/Key.h"

namespace MXF::Zelm::Metadata::DMS1::DMS1MetadataKeys {

MXFZELM_EXPORT KLV::Key const& address();
MXFZELM_EXPORT KLV::Key const& annotation();
MXFZELM_EXPORT KLV::Key const& award();
MXFZELM_EXPORT KLV::Key const& branding();
MXFZELM_EXPORT KLV::Key const& captionsDescription();
MXFZELM_EXPORT KLV::Key const& classification();
MXFZELM_EXPORT KLV::Key const& clipFramework();
MXFZELM_EXPORT KLV::Key const& communications();
MXFZELM_EXPORT KLV::Key const& contactsList();
MXFZELM_EXPORT KLV::Key const& contract();
MXFZELM_EXPORT KLV::Key const& cueWords();
MXFZELM_EXPORT KLV::Key const& dMS1Identification();
MXFZELM_EXPORT KLV::Key const& deviceParameters();
MXFZELM_EXPORT KLV::Key const& event();
MXFZELM_EXPORT KLV::Key const& groupRelationship();
MXFZELM_EXPORT KLV::Key const& keyPoint();
MXFZELM_EXPORT KLV::Key const& location();
MXFZELM_EXPORT KLV::Key const& nameValue();
MXFZELM_EXPORT KLV::Key const& organisation();
MXFZELM_EXPORT KLV::Key const& participant();
MXFZELM_EXPORT KLV::Key const& person();
MXFZELM_EXPORT KLV::Key const& pictureFormat();
MXFZELM_EXPORT KLV::Key const& processing();
MXFZELM_EXPORT KLV::Key const& productionFramework();
MXFZELM_EXPORT KLV::Key const& project();
MXFZELM_EXPORT KLV::Key const& publication();
MXFZELM_EXPORT KLV::Key const& rights();
MXFZELM_EXPORT KLV::Key const& sceneFramework();
MXFZELM_EXPORT KLV::Key const& scripting();
MXFZELM_EXPORT KLV::Key const& settingPeriod();
MXFZELM_EXPORT KLV::Key const& shot();
MXFZELM_EXPORT KLV::Key const& titles();

} // namespace MXF::Zelm::Metadata::DMS1::DMS1MetadataKeys
