#include "TVLProgress.h"

#include <utility>

namespace {

TVLProgress::Maker &progressMaker()
{
    static TVLProgress::Maker maker;
    return maker;
}

} // namespace

TVLProgress::~TVLProgress() = default;

void TVLProgress::begin(const QString & /*text*/, int /*total*/) { }

void TVLProgress::advance(int /*steps*/) { }

bool TVLProgress::isCanceled() const
{
    return false;
}

void TVLProgress::finish() { }

void TVLProgress::setMaker(Maker maker)
{
    progressMaker() = std::move(maker);
}

std::unique_ptr<TVLProgress> TVLProgress::madeByMaker()
{
    const Maker &maker = progressMaker();
    return maker ? maker() : nullptr;
}
