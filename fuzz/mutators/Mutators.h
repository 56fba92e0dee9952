#pragma once

#include "mutators/Chance.h"
#include "mutators/Content.h"

namespace orvantis::fuzz {

// Each makes one change that keeps the form of the file: its tokens, its records and their sizes. Changes of
// any bytes mostly break a file where its form is read first, so what is behind that would hardly be reached.
// @return false, with the content as it was, when it does not have that form

bool mutateJson(Content& content, Chance& chance);
/// Lines of fields; of a file with binary data behind a header of text, the header.
bool mutateLines(Content& content, Chance& chance);
/// A document and lines of tracks, with a byte of 0 between them.
bool mutateSession(Content& content, Chance& chance);
bool mutateMcap(Content& content, Chance& chance);
bool mutateBag(Content& content, Chance& chance);
bool mutateLas(Content& content, Chance& chance);
/// float32 records behind one byte.
bool mutateFloats(Content& content, Chance& chance);

}  // namespace orvantis::fuzz
