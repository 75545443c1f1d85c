#include "MXF/Zelm/DataIO/DataSink.h"
#include "MXF/Zelm/DataIO/DataSource.h"
#include "MXF/Zelm/DataIO/SliceSource.h"

namespace MXF::Zelm::DataIO {

// The interfaces have their tables of operations here.
RandomAccessible::~RandomAccessible() = default;
DataSource::~DataSource() = default;
BoundedDataSource::~BoundedDataSource() = default;
RandomAccessDataSource::~RandomAccessDataSource() = default;
DataSink::~DataSink() = default;
RandomAccessDataSink::~RandomAccessDataSink() = default;
SliceSource::~SliceSource() = default;

} // namespace MXF::Zelm::DataIO
