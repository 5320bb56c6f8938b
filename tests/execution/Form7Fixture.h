#pragma once
// The register's fixture under its former name, for the tests not yet on the kit.
#include "support/RegisterTest.h"
using Form7Fixture = RegisterTest;
