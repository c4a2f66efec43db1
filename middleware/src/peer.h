#pragma once

#include "key_text.h"
