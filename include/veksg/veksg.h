#pragma once

// Umbrella header: the whole public interface of the veksg namespace.
#include "veksg/Analysis.h"
#include "veksg/Container.h"
#include "veksg/Documents.h"
#include "veksg/Export.h"
#include "veksg/Factory.h"
#include "veksg/Features.h"
#include "veksg/Geometry.h"
#include "veksg/Hierarchy.h"
#include "veksg/PairT.h"
#include "veksg/Resources.h"
#include "veksg/SCScene.h"
#include "veksg/SCSceneRes.h"
#include "veksg/SCSceneTopo.h"
#include "veksg/Schema.h"
#include "veksg/Set.h"
