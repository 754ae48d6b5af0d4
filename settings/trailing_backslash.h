#pragma once

#include "text/paths.h"
