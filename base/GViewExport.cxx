// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// Pictures and scenes written to files: members of GView.
#include "GView.h"
