// SPDX-License-Identifier: MIT
#include "private_file.h"

#include <kit/descriptor.h>
#include <kit/output.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

PrivateFile::PrivateFile(const std::string& name, const std::string& text)
    : fFolder("tarvek-robot"), fPath(fFolder.path() + "/" + name)
{
    const kit::Descriptor file(
        ::open(fPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen())
        throw std::system_error(errno, std::generic_category(), "cannot make " + fPath);
    kit::Output output(file.get());
    output.add(text);
    output.flush();
}
