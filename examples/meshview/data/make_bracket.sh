#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# make_bracket.sh: meshes bracket.geo with gmsh (Debian's package "gmsh") and
# writes bracket.vtu beside it, with the cell arrays BlockId (the physical
# volumes of bracket.geo; the field array BlockNames names them) and MeanRatio
# (1 for a regular tetrahedron, towards 0 for a flat one).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

mesh=$(mktemp --suffix=.msh)
trap 'rm -f "$mesh"' EXIT
gmsh -3 -nt 1 -v 2 -format msh2 -o "$mesh" bracket.geo

# Format 2 of gmsh: sections between $NAME and $EndNAME. An element is: number,
# type (4 is a tetrahedron), number of tags, the tags (the first is the physical
# volume), nodes.
awk '
function array(type, name, more) {
  printf "<DataArray type=\"%s\" Name=\"%s\"%s format=\"ascii\">\n", type, name, more
}
# Text is stored as character codes, ended by 0.
function codes(text,   i, line) {
  for (i = 1; i <= length(text); ++i) line = line ord[substr(text, i, 1)] " "
  return line "0"
}
function squared_distance(a, b) {
  return (x[a] - x[b]) ^ 2 + (y[a] - y[b]) ^ 2 + (z[a] - z[b]) ^ 2
}
function six_volumes(a, b, c, d,   i, j, k, l, m, n, o, p, q) {
  i = x[b] - x[a]; j = y[b] - y[a]; k = z[b] - z[a]
  l = x[c] - x[a]; m = y[c] - y[a]; n = z[c] - z[a]
  o = x[d] - x[a]; p = y[d] - y[a]; q = z[d] - z[a]
  return i * (m * q - n * p) - j * (l * q - n * o) + k * (l * p - m * o)
}
function mean_ratio(a, b, c, d,   volumes, squares) {
  volumes = six_volumes(a, b, c, d)
  squares = squared_distance(a, b) + squared_distance(a, c) + squared_distance(a, d) \
          + squared_distance(b, c) + squared_distance(b, d) + squared_distance(c, d)
  return volumes > 0 ? 12 * (volumes / 2) ^ (2 / 3) / squares : 0
}
BEGIN { for (i = 32; i < 127; ++i) ord[sprintf("%c", i)] = i }
/^\$/ { section = $1; next }
section == "$PhysicalNames" && NF >= 3 { split($0, part, "\""); names[$2] = part[2]; ids[++blocks] = $2 }
section == "$Nodes" && NF == 4 {
  number[$1] = nodes++
  point[nodes] = sprintf("%.5g %.5g %.5g", $2, $3, $4)
  x[$1] = $2; y[$1] = $3; z[$1] = $4
}
section == "$Elements" && $2 == 4 {
  n = 4 + $3
  cell[++cells] = number[$n] " " number[$(n + 1)] " " number[$(n + 2)] " " number[$(n + 3)]
  block[cells] = $4
  quality[cells] = sprintf("%.3f", mean_ratio($n, $(n + 1), $(n + 2), $(n + 3)))
}
END {
  print "<?xml version=\"1.0\"?>"
  print "<!-- SPDX-FileCopyrightText: the libmorrow_base authors -->"
  print "<!-- SPDX-License-Identifier: BSD-3-Clause -->"
  print "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" header_type=\"UInt64\">"
  print "<UnstructuredGrid>"
  print "<FieldData>"
  printf "<Array type=\"String\" Name=\"BlockNames\" NumberOfTuples=\"%d\" format=\"ascii\">\n", blocks
  for (i = 1; i <= blocks; ++i) print codes(names[ids[i]])
  print "</Array>"
  print "</FieldData>"
  printf "<Piece NumberOfPoints=\"%d\" NumberOfCells=\"%d\">\n", nodes, cells
  print "<CellData>"
  array("Int32", "BlockId"); for (i = 1; i <= cells; ++i) print block[i]; print "</DataArray>"
  array("Float32", "MeanRatio"); for (i = 1; i <= cells; ++i) print quality[i]; print "</DataArray>"
  print "</CellData>"
  print "<Points>"
  array("Float32", "Points", " NumberOfComponents=\"3\"")
  for (i = 1; i <= nodes; ++i) print point[i]
  print "</DataArray>"
  print "</Points>"
  print "<Cells>"
  array("Int32", "connectivity"); for (i = 1; i <= cells; ++i) print cell[i]; print "</DataArray>"
  array("Int32", "offsets"); for (i = 1; i <= cells; ++i) print 4 * i; print "</DataArray>"
  array("UInt8", "types"); for (i = 1; i <= cells; ++i) print 10; print "</DataArray>"
  print "</Cells>"
  print "</Piece>"
  print "</UnstructuredGrid>"
  print "</VTKFile>"
}' "$mesh" >bracket.vtu
