#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// One row of the device filter: which USB device counts as which device class, and under which
/// name it is shown. A zero id matches any.
struct CWUVCFilterItem
{
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::string model; ///< Empty: the device's own name.
    std::int32_t type = 0;
};

/// The rows that decide which cameras CWFactory::videoDeviceList shows. Filled by the program
/// before the first enumeration; not to be changed while one runs.
class CWUVCFilter
{
public:
    CWUVCFilter();
    ~CWUVCFilter();

    void clear();
    void addItem(CWUVCFilterItem item);

    const std::vector<CWUVCFilterItem>& items() const { return rows; }

private:
    std::vector<CWUVCFilterItem> rows;
};
