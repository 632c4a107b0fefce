#pragma once

#include "TVL.h"
#include "TVLWordTable.h"

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

inline constexpr TVLWord<TVL::DocumentProperty> SearchProperties[] = {
    {TVL::AllProperties, u"All"},
    {TVL::TitleProperty, u"Title"},
    {TVL::TextProperty, u"Text"},
    {TVL::NotesProperty, u"Notes"},
    {TVL::SynopsisProperty, u"Synopsis"},
    {TVL::KeywordsProperty, u"Keywords"},
    {TVL::LabelProperty, u"Label"},
    {TVL::StatusProperty, u"Status"},
    {TVL::CustomMetaDataProperty, u"CustomMetaData"},
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

} // namespace TVLBinderWords
