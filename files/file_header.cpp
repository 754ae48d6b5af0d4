#include "files/file_header.h"

#include "rw/file.h"
#include "rw/virtual_streams.h"

bool WriteHeader(RWFile& file, const FILE_HEADER& header) {
    return file.Write(&header, sizeof header);
}

bool WriteHeader(RWvostream& stream, const FILE_HEADER& header) {
    return stream.put(&header, sizeof header).good();
}

bool ReadHeader(RWFile& file, FILE_HEADER* header) {
    return header && file.Read(header, sizeof *header);
}

bool ReadHeader(RWvistream& stream, FILE_HEADER* header) {
    return header && stream.get(header, sizeof *header).good();
}
