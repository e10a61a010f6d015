#pragma once

// Umbrella header: the whole public interface of the veksg namespace.
#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Factory.h"
#include "veksg/Functors.h"
#include "veksg/Geometry.h"
#include "veksg/Hierarchy.h"
#include "veksg/PMI.h"
#include "veksg/PairT.h"
#include "veksg/Resources.h"
#include "veksg/SCStates.h"
#include "veksg/Schema.h"
#include "veksg/Set.h"
#include "veksg/StateFactory.h"
#include "veksg/States.h"
