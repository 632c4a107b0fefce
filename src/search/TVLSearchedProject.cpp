#include "TVLSearchedProject.h"

TVLSearchedProject::TVLSearchedProject() = default;
TVLSearchedProject::~TVLSearchedProject() = default;
