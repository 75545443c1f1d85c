/// Who patches bytes that were written; declared where sources of essence make them.
#pragma once

#include "MXF/Zelm/GenericContainer/FutureUpdater.h"
