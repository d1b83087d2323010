#pragma once

#include "store/list_file.h"

namespace pmx {

/// What a save writes when another program has changed the list file: `base` is what the file held when the
/// list was read, or what of its own the list wrote last; `mine` is what the list holds now, `theirs` what
/// the file holds now. What only one side has changed is taken from that side.
///
/// * Entries are the same when they have the same file, whatever the case of A to Z, standard ones when they
///   have the same name and number, and such as cannot be read when they have the same text. Of equal ones the
///   first belongs to the first, the second to the second. An entry of a file that both sides have added is
///   one; of standard favorites that both have added, each counts.
/// * What mine has added, changed or moved holds. Of what mine has only moved, the change of theirs holds too.
///   What mine has deleted is left out unless theirs has changed it. Of all else, what theirs has holds.
/// * The order is theirs unless mine has moved something. What mine has added keeps its place among mine; what
///   theirs has added stays behind the nearest entry before it there that is kept. Without one it comes first,
///   or last when the order is mine.
///
/// The cost is linear but for a small factor. The result refers to the texts of the arguments.
ListValues MergeValues(const ListValues& base, const ListValues& mine, const ListValues& theirs);

} // namespace pmx
