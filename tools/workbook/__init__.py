"""The workbook that teaches: contents, a sheet for each family of functions, and deals as a desk books them."""
