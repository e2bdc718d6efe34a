// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace morrow {

/// Rasterises one character, once in the process and without a display. VTK's text renderer is about thirty
/// times slower, for the rest of the process, when it is first used after a mesh has been rendered.
void warm_up_text();

} // namespace morrow
