#include "TVLBinderProject.h"

TVLBinderProject::TVLBinderProject() = default;
TVLBinderProject::~TVLBinderProject() = default;
