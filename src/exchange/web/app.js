// The inventory web site: routing, pages, filters, tables, gallery and lightbox. Plain browser script.
"use strict";
