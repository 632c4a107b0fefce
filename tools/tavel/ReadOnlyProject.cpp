#include "ReadOnlyProject.h"

ReadOnlyProject::ReadOnlyProject()
    : mRoot(std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, QUuid()), nullptr))
{
}

ReadOnlyProject::~ReadOnlyProject() = default;
