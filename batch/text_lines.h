// The lines of a small text file, read whole.
#pragma once

#include <QString>

#include <string>
#include <vector>

/// The lines as bytes, without their ends; a carriage return before the line feed belongs to a DOS
/// line end and is dropped. Pipes are read too. Throws cUsageError, whose text begins with
/// `requester`, when the file cannot be read.
std::vector<std::string> readLines(const QString& path, const QString& requester);
