#pragma once

#include "TVL.h"
#include "TVLTargets.h"
#include "TVLWordTable_p.h"

#include <QPageLayout>
#include <QPageSize>

/** Words of the binder that stand for numbers of the library. */
namespace TVLBinderWords {

inline constexpr QStringView Yes = u"Yes";
inline constexpr QStringView No = u"No";

inline QString yesOrNo(bool flag)
{
    return (flag ? Yes : No).toString();
}

/** Text mode that is the default and so is never kept. */
inline constexpr QStringView GeneralTextMode = u"General";

inline constexpr TVLWord<TVL::TargetType> TargetTypes[] = {
    {TVL::WordsTarget, u"Words"},
    {TVL::CharactersTarget, u"Characters"},
};

inline constexpr TVLWord<int> ImageRotations[] = {
    {1, u"90CW"},
    {2, u"180"},
    {3, u"90CCW"},
};

inline constexpr TVLWord<TVL::SearchOperator> SearchOperators[] = {
    {TVL::ExactOperator, u"Exact"},   {TVL::AllOperator, u"All"},
    {TVL::AnyOperator, u"Any"},       {TVL::WholeWordOperator, u"WholeWord"},
    {TVL::RegExpOperator, u"RegExp"},
};

inline constexpr TVLWord<int> SearchScopes[] = {
    {TVL::AllScope, u"All"},
    {TVL::SelectionScope, u"Selection"},
    {TVL::DraftScope, u"Draft"},
    {TVL::ExcludeTrashScope, u"ExcludeTrash"},
};

inline constexpr TVLWord<TVL::SearchCompile> SearchCompiles[] = {
    {TVL::AnyCompile, u"All"},
    {TVL::IncludedInCompile, u"Include"},
    {TVL::ExcludedFromCompile, u"Exclude"},
};

inline constexpr TVLWord<Qt::CaseSensitivity> CaseSensitivities[] = {
    {Qt::CaseSensitive, Yes},
    {Qt::CaseInsensitive, No},
};

/** What the targets of the draft and of a session count. */
inline constexpr TVLWord<int> CountTypes[] = {
    {int(TVLCountType::Characters), u"Characters"},
    {int(TVLCountType::Words), u"Words"},
    {int(TVLCountType::Pages), u"Pages"},
};

/** What is behind the text in full screen. */
inline constexpr QStringView ItemBackdrop = u"BinderID";
inline constexpr QStringView ImageBackdrop = u"Path";

/** The first row of a size or word wins. A1 has the word of A2 in all projects that there are, so
 * that A2 is read as A1. */
inline constexpr TVLWord<QPageSize::PageSizeId> PaperTypes[] = {
    {QPageSize::A0, u"A0"},           {QPageSize::A1, u"A2"},
    {QPageSize::A2, u"A2"},           {QPageSize::A3, u"A3"},
    {QPageSize::A4, u"A4"},           {QPageSize::A5, u"A5"},
    {QPageSize::A6, u"A6"},           {QPageSize::A7, u"A7"},
    {QPageSize::A8, u"A8"},           {QPageSize::A9, u"A9"},
    {QPageSize::B0, u"B0"},           {QPageSize::B10, u"B10"},
    {QPageSize::B2, u"B2"},           {QPageSize::B3, u"B3"},
    {QPageSize::B4, u"B4"},           {QPageSize::B5, u"B5"},
    {QPageSize::B6, u"B6"},           {QPageSize::B7, u"B7"},
    {QPageSize::B8, u"B8"},           {QPageSize::Executive, u"Executive"},
    {QPageSize::Folio, u"Folio"},     {QPageSize::Ledger, u"Ledger"},
    {QPageSize::Legal, u"Legal"},     {QPageSize::Letter, u"Letter"},
    {QPageSize::Tabloid, u"Tabloid"},
};

inline constexpr TVLWord<QPageLayout::Orientation> Orientations[] = {
    {QPageLayout::Portrait, u"Portrait"},
    {QPageLayout::Landscape, u"Landscape"},
};

} // namespace TVLBinderWords
