#include "host/data/ReadData.h"

#include "host/data/ByteSource.h"
#include "host/data/DataError.h"
#include "host/data/DelimitedReader.h"
#include "host/data/OtherFormats.h"

#include <array>
#include <memory>
#include <new>
#include <string>

namespace korvana {

DataSet readData(const std::filesystem::path& path, const ReadOptions& options) {
    std::string name = path.string();
    try {
        const std::unique_ptr<ByteSource> source = openSource(path, options.stop);
        name = source->name();
        // Readers of further formats are chosen here, by the first bytes and the ending.
        std::array<char, 4096> first{};
        const std::size_t count = source->readFully(first);
        source->rewind();
        refuseOtherFormats({first.data(), count}, path, name);
        DataSet data = readDelimited(*source, options);
        data.setReadSettings({options.header, options.separator, options.decimalMark, options.dates});
        return data;
    } catch (const std::bad_alloc&) {
        throw DataError(
            name, 0, 0,
            "there is not enough memory for the data; leave out cases or variables that are not needed");
    }
}

} // namespace korvana
