#include "ViewFixture.h"
