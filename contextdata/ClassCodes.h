#pragma once

/// The storage classes that the library tells apart.
enum ClassCode : int {
  CellClass = 1,
  StructureClass = 2,
  DoubleClass = 6,
  StructureObjectClass = 18,
  FirstUserClass = 18,  ///< from here on a value's class is asked for its size
};
