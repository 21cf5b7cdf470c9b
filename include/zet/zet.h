#pragma once

// Everything that a player needs of the display module.

#include "zet/clogcollection.h"
#include "zet/configids.h"
#include "zet/displayconfig.h"
#include "zet/displayconfigkit.h"
#include "zet/globalconfiger.h"
#include "zet/records.h"
#include "zet/rendermode.h"
#include "zet/version.h"
#include "zet/zetdisplay.h"
#include "zet/zetlog.h"
