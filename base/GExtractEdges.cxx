// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GExtractEdges.h"

#include <new>
#include <stdexcept>

#include "EdgeExtraction.h"

#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPolyData.h>

vtkStandardNewMacro(GExtractEdges)

void GExtractEdges::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
}

int GExtractEdges::FillInputPortInformation(int /*port*/, vtkInformation* info)
{
  info->Set(vtkAlgorithm::INPUT_REQUIRED_DATA_TYPE(), "vtkDataSet");
  return 1;
}

int GExtractEdges::RequestData(vtkInformation* /*request*/, vtkInformationVector** input_vector,
                               vtkInformationVector* output_vector)
{
  vtkPointSet* input = vtkPointSet::GetData(input_vector[0]);
  vtkPolyData* output = vtkPolyData::GetData(output_vector);
  if (input == nullptr || output == nullptr) {
    vtkErrorMacro("The input must be a point set.");
    return 1;
  }
  output->SetPoints(input->GetPoints());
  output->GetPointData()->PassData(input->GetPointData());
  if (input->GetNumberOfPoints() < 1 || input->GetNumberOfCells() < 1) {
    return 1;
  }
  const auto progress = [this](double part) {
    this->UpdateProgress(part);
    return this->GetAbortExecute() != 0;
  };
  try {
    const morrow::EdgeExtractionReport report = morrow::extract_edges(*input, *output, progress);
    if (report.broken_cells > 0) {
      vtkErrorMacro(<< report.broken_cells << " broken cells of the input have been left out.");
    }
  } catch (const std::bad_alloc&) { // must not unwind VTK's pipeline
    output->Initialize();
    vtkErrorMacro("Not enough memory for the edges.");
  } catch (const std::length_error&) {
    output->Initialize();
    vtkErrorMacro("There are too many edges.");
  }
  return 1;
}
