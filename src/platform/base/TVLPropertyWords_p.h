#pragma once

#include "TVL.h"
#include "TVLWordTable_p.h"

/** The words that binders have for where a search looks. Comments have none there. */
inline constexpr TVLWord<TVL::DocumentProperty> TVLPropertyWords[] = {
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
