#pragma once

#include "base/texts.h"
