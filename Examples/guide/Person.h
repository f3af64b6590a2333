#pragma once

#include <map>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Tree.h>

namespace Guide {

// What the guide begins with, and what its other parts go on with.

KivBase::ReturnPtrI<KivGenerics::Tree> MakePerson();
KivGenerics::Map* GetPerson(KivGenerics::Tree* tree);
KivGenerics::Map* AddMeasurement(KivGenerics::Map* map, int index, const std::vector<double>& samples);
void CorrectSamples(KivGenerics::Map* measurement, const std::map<int, double>& values);

}  // namespace Guide
