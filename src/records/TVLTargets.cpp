#include "TVLTargets.h"

#include "TVLWordTable_p.h"

namespace {

constexpr TVLWord<TVLSessionTarget::ResetType> ResetTypeWords[] = {
    {TVLSessionTarget::Midnight, u"Midnight"},
    {TVLSessionTarget::ProjectClose, u"ProjectClose"},
    {TVLSessionTarget::NextDay, u"NextDay"},
    {TVLSessionTarget::Never, u"Never"},
};

} // namespace

QString TVLSessionTarget::toString(ResetType type)
{
    return tvlWordOf(ResetTypeWords, type, ResetTypeWords[0].word).toString();
}

TVLSessionTarget::ResetType TVLSessionTarget::fromString(QStringView word)
{
    return tvlValueOf(ResetTypeWords, word, Midnight);
}
