// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <iosfwd>

/// The number of bytes that a classic NetCDF file (Exodus files are such) must have by its own header.
/// file_size is the number that it has. Throws MeshError when the header is damaged or cut short.
///
/// The NetCDF library reads what is missing at the end of such a file as zeros.
[[nodiscard]] std::uintmax_t netcdf_size(std::istream& stream, std::uintmax_t file_size);
