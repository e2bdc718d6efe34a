// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshReader.h"

#include "AppUtil.h"
#include "Console.h"
#include "FileCheck.h"
#include "MeshBlocks.h"
#include "MeshCheck.h"
#include "MeshQuality.h"
#include "Progress.h"
#include "VtkMessages.h"

#include <vtkAlgorithm.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataArraySelection.h>
#include <vtkDataReader.h>
#include <vtkDataSet.h>
#include <vtkExodusIIReader.h>
#include <vtkGenericDataObjectReader.h>
#include <vtkOBJReader.h>
#include <vtkPLYReader.h>
#include <vtkPointData.h>
#include <vtkPolyDataReader.h>
#include <vtkSTLReader.h>
#include <vtkUnstructuredGridReader.h>
#include <vtkXMLMultiBlockDataReader.h>
#include <vtkXMLPolyDataReader.h>
#include <vtkXMLUnstructuredGridReader.h>

#include <filesystem>
#include <memory>
#include <new>
#include <set>

namespace {

/// A reader that is ready to be updated.
struct Source
{
  vtkSmartPointer<vtkAlgorithm> reader;
  std::unique_ptr<Progress> progress; ///< watches the reader
  std::set<std::string> arrays;       ///< of the file, as far as the reader has looked
};

/// To be made before the reader looks at the file, which may take long.
Source watch(vtkAlgorithm* reader, const std::string& path)
{
  return {reader, std::make_unique<Progress>(*reader, path), {}};
}

// --- Readers

/// Reads all that is in the file.
template<class Reader>
Source plain_source(const std::string& path)
{
  const auto reader = vtkSmartPointer<Reader>::New();
  reader->SetFileName(path.c_str());
  return watch(reader, path);
}

bool is_wanted(const std::string& array, const ReadRequest& request)
{
  return array == request.color_by || is_block_array(array);
}

void select_arrays(vtkDataArraySelection& selection, const ReadRequest& request, Source& source)
{
  for (int i = 0; i < selection.GetNumberOfArrays(); ++i) {
    const std::string name = selection.GetArrayName(i);
    source.arrays.insert(name);
    selection.SetArraySetting(name.c_str(), is_wanted(name, request) ? 1 : 0);
  }
}

/// Leaves out the arrays that will not be looked at: they are the bulk of most files.
template<class Reader>
Source xml_source(const std::string& path, const ReadRequest& request)
{
  const auto reader = vtkSmartPointer<Reader>::New();
  reader->SetFileName(path.c_str());
  Source source = watch(reader, path);
  reader->UpdateInformation();
  select_arrays(*reader->GetPointDataArraySelection(), request, source);
  select_arrays(*reader->GetCellDataArraySelection(), request, source);
  return source;
}

/// Otherwise the reader takes the first array of each kind.
template<class Reader>
Source legacy_source_of(const std::string& path)
{
  const auto reader = vtkSmartPointer<Reader>::New();
  reader->SetFileName(path.c_str());
  reader->ReadAllScalarsOn();
  reader->ReadAllVectorsOn();
  reader->ReadAllNormalsOn();
  reader->ReadAllTensorsOn();
  reader->ReadAllColorScalarsOn();
  reader->ReadAllTCoordsOn();
  reader->ReadAllFieldsOn();
  return watch(reader, path);
}

/// The reader for any kind of data does not report progress.
Source legacy_source(const std::string& path)
{
  vtkNew<vtkGenericDataObjectReader> any;
  any->SetFileName(path.c_str());
  switch (any->ReadOutputType()) {
  case VTK_UNSTRUCTURED_GRID:
    return legacy_source_of<vtkUnstructuredGridReader>(path);
  case VTK_POLY_DATA:
    return legacy_source_of<vtkPolyDataReader>(path);
  default:
    return legacy_source_of<vtkGenericDataObjectReader>(path);
  }
}

/// All element blocks, undeformed, with the values of the last time step. The blocks share the points of the
/// file: squeezed ones would cost a copy of the points of each, and the reader would trust their point
/// numbers.
Source exodus_source(const std::string& path, const ReadRequest& request)
{
  const auto reader = vtkSmartPointer<vtkExodusIIReader>::New();
  if (reader->CanReadFile(path.c_str()) == 0) {
    throw MeshError("is not an Exodus file, or is damaged");
  }
  reader->SetFileName(path.c_str());
  reader->SetSqueezePoints(false);
  reader->SetApplyDisplacements(0);
  Source source = watch(reader, path);
  reader->UpdateInformation();
  reader->SetTimeStep(reader->GetTimeStepRange()[1]);
  reader->SetAllArrayStatus(vtkExodusIIReader::ELEM_BLOCK, 1);
  for (const int kind : {vtkExodusIIReader::NODAL, vtkExodusIIReader::ELEM_BLOCK}) {
    for (int i = 0; i < reader->GetNumberOfObjectArrays(kind); ++i) {
      const std::string name = reader->GetObjectArrayName(kind, i);
      source.arrays.insert(name);
      reader->SetObjectArrayStatus(kind, name.c_str(), name == request.color_by ? 1 : 0);
    }
  }
  return source;
}

Source make_source(const std::string& path, const ReadRequest& request)
{
  switch (check_file(path)) {
  case MeshFormat::XmlUnstructuredGrid:
    return xml_source<vtkXMLUnstructuredGridReader>(path, request);
  case MeshFormat::XmlPolyData:
    return xml_source<vtkXMLPolyDataReader>(path, request);
  case MeshFormat::XmlMultiBlock:
    return plain_source<vtkXMLMultiBlockDataReader>(path);
  case MeshFormat::LegacyVtk:
    return legacy_source(path);
  case MeshFormat::Stl:
    return plain_source<vtkSTLReader>(path);
  case MeshFormat::Ply:
    return plain_source<vtkPLYReader>(path);
  case MeshFormat::Obj:
    return plain_source<vtkOBJReader>(path);
  case MeshFormat::Exodus:
    return exodus_source(path, request);
  }
  throw MeshError("unknown format");
}

// --- Reading

void stop_if_interrupted()
{
  if (AppUtil::instance()->interrupt()) {
    throw ReadInterrupted();
  }
}

/// Some readers call damage a warning.
bool is_damage(const std::string& warning)
{
  for (const char* sign : {"rror reading", "EOF", "end of file", "may be incorrect"}) {
    if (warning.find(sign) != std::string::npos) {
      return true;
    }
  }
  return false;
}

/// What VTK found wrong with the file; empty when it is sound.
std::string damage_in(const VtkMessages& messages)
{
  const std::string warning = messages.first_warning();
  return is_damage(warning) ? warning : messages.first_error();
}

vtkDataObject* update(vtkAlgorithm& reader)
{
  stop_if_interrupted();
  reader.Update();
  stop_if_interrupted();
  return reader.GetOutputDataObject(0);
}

void list_arrays(vtkDataSetAttributes& attributes, std::set<std::string>& names)
{
  for (int i = 0; i < attributes.GetNumberOfArrays(); ++i) {
    const vtkDataArray* array = attributes.GetArray(i); // null for texts
    if (array != nullptr && attributes.GetArrayName(i) != nullptr) {
      names.insert(attributes.GetArrayName(i));
    }
  }
}

/// Adds the blocks of one mesh to the file.
void add_blocks(const NamedMesh& whole, const ReadRequest& request, MeshFile& file)
{
  if (request.ids) {
    add_ids(*whole.mesh);
  }
  if (request.quality) {
    MeshQuality::add_to(*whole.mesh);
  }
  for (const NamedMesh& part : split_by_block_array(whole)) {
    stop_if_interrupted();
    if (part.mesh->GetNumberOfCells() > 0) {
      file.blocks.push_back(make_block(part.name, *part.mesh, request));
    }
  }
}

void add_meshes(const std::vector<NamedMesh>& meshes, const ReadRequest& request, MeshFile& file)
{
  std::set<std::string> arrays(file.arrays.begin(), file.arrays.end());
  for (const NamedMesh& mesh : meshes) {
    check_mesh(*mesh.mesh);
    list_arrays(*mesh.mesh->GetPointData(), arrays);
    list_arrays(*mesh.mesh->GetCellData(), arrays);
    add_blocks(mesh, request, file);
  }
  file.arrays.assign(arrays.begin(), arrays.end());
}

/// The reason for a file without any mesh.
std::string emptiness(const MeshFile& file, const VtkMessages& messages)
{
  const std::string warning = messages.first_warning();
  return !file.damage.empty() ? file.damage : !warning.empty() ? warning : "has no cells";
}

MeshFile read_all(const std::string& path, const ReadRequest& request)
{
  const VtkMessages messages;
  Source source = make_source(path, request);
  vtkDataObject* data = update(*source.reader);
  MeshFile file;
  file.path = path;
  file.damage = damage_in(messages);
  const bool may_have_gaps = vtkXMLMultiBlockDataReader::SafeDownCast(source.reader) != nullptr;
  if (data == nullptr || (!file.damage.empty() && !may_have_gaps)) {
    throw MeshError(emptiness(file, messages));
  }
  file.arrays.assign(source.arrays.begin(), source.arrays.end());
  add_meshes(list_meshes(*data, std::filesystem::path(path).stem().string()), request, file);
  if (file.blocks.empty()) {
    throw MeshError(emptiness(file, messages));
  }
  return file;
}

} // namespace

MeshFile read_mesh(const std::string& path, const ReadRequest& request)
{
  const Console::Quiet quiet;
  try {
    return read_all(path, request);
  } catch (const std::bad_alloc&) {
    throw MeshError("needs more memory than there is, or is damaged");
  } catch (const std::length_error&) {
    throw MeshError("needs more memory than there is, or is damaged");
  }
}
