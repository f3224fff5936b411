#include "zolens/CWUVCFilter.h"

#include <utility>

CWUVCFilter::CWUVCFilter() = default;

CWUVCFilter::~CWUVCFilter() = default;

void CWUVCFilter::clear()
{
    rows.clear();
}

void CWUVCFilter::addItem(CWUVCFilterItem item)
{
    rows.push_back(std::move(item));
}
