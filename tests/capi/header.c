#include "tesmar/capi/tesmar.h"
