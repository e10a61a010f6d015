#pragma once

#include "vekmath/MatrixUtils.h"
#include "vekmath/Tuple.h"
#include "vekmath/TupleUtils.h"
