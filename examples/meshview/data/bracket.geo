// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// A bearing bracket in millimetres: a base plate with four bolt holes and a
// slot, a wall with a bearing bore that stands on it, and two ribs between
// them. Three element blocks, meshed with tetrahedra that share their nodes.
// make_bracket.sh makes bracket.vtu of it.
SetFactory("OpenCASCADE");

length = 120; // of the base, along x
width = 90;   // along y
base = 12;    // thicknesses
wall = 16;
rib = 10;
axis = 75;    // height of the bore above the ground
bore = 20;    // radii
boss = 30;
crown = 45;   // half of the width: the wall ends in a half circle
fillet = 9;   // between wall and base
corner = 15;

// --- Base plate: rounded front corners, countersunk holes, a slot.
Box(1) = {0, -width / 2, 0, length, width, base};
front() = {};
For s In {-1 : 1 : 2}
  e() = Line In BoundingBox {length - 1, s * width / 2 - 1, -1, length + 1, s * width / 2 + 1, base + 1};
  front() += e();
EndFor
Fillet{1}{front()}{corner}
holes() = {};
For i In {0 : 1}
  For s In {-1 : 1 : 2}
    x = 46 + i * 56;
    y = s * 22;
    v = newv; Cylinder(v) = {x, y, -1, 0, 0, base + 2, 5.5};
    holes() += v;
    v = newv; Cone(v) = {x, y, base - 4, 0, 0, 5, 5.5, 10.5};
    holes() += v;
  EndFor
EndFor
v = newv; Box(v) = {62, -5, -1, 24, 10, base + 2};
holes() += v;
v = newv; Cylinder(v) = {62, 0, -1, 0, 0, base + 2, 5};
holes() += v;
v = newv; Cylinder(v) = {86, 0, -1, 0, 0, base + 2, 5};
holes() += v;
plate() = BooleanDifference{ Volume{1}; Delete; }{ Volume{holes()}; Delete; };

// --- Wall: a profile with a hollow foot, cut to a half circle at the top, with
// a boss around the bore.
p = newp;
Point(p) = {0, -width / 2, base};
Point(p + 1) = {wall + fillet, -width / 2, base};
Point(p + 2) = {wall, -width / 2, base + fillet};
Point(p + 3) = {wall, -width / 2, axis + crown};
Point(p + 4) = {0, -width / 2, axis + crown};
Point(p + 5) = {wall + fillet, -width / 2, base + fillet};
l = newl;
Line(l) = {p, p + 1};
Circle(l + 1) = {p + 1, p + 5, p + 2};
Line(l + 2) = {p + 2, p + 3};
Line(l + 3) = {p + 3, p + 4};
Line(l + 4) = {p + 4, p};
c = newll; Curve Loop(c) = {l : l + 4};
f = news; Plane Surface(f) = {c};
profile() = Extrude {0, width, 0} { Surface{f}; };
below = newv; Box(below) = {-1, -width / 2, 0, wall + fillet + 2, width, axis};
round = newv; Cylinder(round) = {-1, 0, axis, wall + fillet + 2, 0, 0, crown};
outline() = BooleanUnion{ Volume{below}; Delete; }{ Volume{round}; Delete; };
upright() = BooleanIntersection{ Volume{profile(1)}; Delete; }{ Volume{outline()}; Delete; };
ring = newv; Cylinder(ring) = {0, 0, axis, wall + 7, 0, 0, boss};
upright() = BooleanUnion{ Volume{upright()}; Delete; }{ Volume{ring}; Delete; };
shaft = newv; Cylinder(shaft) = {-1, 0, axis, wall + 10, 0, 0, bore};
upright() = BooleanDifference{ Volume{upright()}; Delete; }{ Volume{shaft}; Delete; };

// --- Ribs, less what the wall's foot already fills.
ribs() = {};
For s In {-1 : 1 : 2}
  y = s * 38 - rib / 2;
  p = newp;
  Point(p) = {wall - 1, y, base};
  Point(p + 1) = {94, y, base};
  Point(p + 2) = {94, y, base + 5};
  Point(p + 3) = {wall + 6, y, axis - 6};
  Point(p + 4) = {wall - 1, y, axis - 6};
  l = newl;
  Line(l) = {p, p + 1};
  Line(l + 1) = {p + 1, p + 2};
  Line(l + 2) = {p + 2, p + 3};
  Line(l + 3) = {p + 3, p + 4};
  Line(l + 4) = {p + 4, p};
  c = newll; Curve Loop(c) = {l : l + 4};
  f = news; Plane Surface(f) = {c};
  r() = Extrude {0, rib, 0} { Surface{f}; };
  r() = BooleanDifference{ Volume{r(1)}; Delete; }{ Volume{upright()}; };
  ribs() += r();
EndFor

// --- Common faces, blocks and mesh.
Coherence;
plate() = Volume In BoundingBox {-1, -width, -1, length + 1, width, base + 1};
upright() = Volume In BoundingBox {-1, -width, base - 1, wall + fillet + 1, width, axis + crown + 1};
all() = Volume {:};
Physical Volume("base plate", 1) = {plate()};
Physical Volume("wall", 2) = {upright()};
all() -= {plate()};
all() -= {upright()};
Physical Volume("ribs", 3) = {all()};

Mesh.CharacteristicLengthMax = 7;
Mesh.CharacteristicLengthMin = 2;
Mesh.CharacteristicLengthFromCurvature = 1;
Mesh.MinimumElementsPerTwoPi = 18;
Mesh.Algorithm = 6;
Mesh.Optimize = 1;
