/// The two forms of what `zelm info` shows.
#pragma once

#include "FileInfo.h"
#include "Json.h"

namespace Zelm {

void printInfoText(FileInfo const& info);
Json infoJson(FileInfo const& info);

} // namespace Zelm
