#pragma once

// Umbrella header: the whole public interface of the veksg namespace.
#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Factory.h"
#include "veksg/Geometry.h"
#include "veksg/Hierarchy.h"
#include "veksg/PairT.h"
#include "veksg/Resources.h"
#include "veksg/SCAttributes.h"
#include "veksg/SCView.h"
#include "veksg/Schema.h"
#include "veksg/Set.h"
#include "veksg/Values.h"
