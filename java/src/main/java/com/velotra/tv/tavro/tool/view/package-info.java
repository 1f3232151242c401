/**
 * A page for a web browser that shows the lists of one or two storage directories.
 *
 * <p>The page is one file. {@link com.velotra.tv.tavro.tool.view.Page} puts its style, its scripts and the data
 * together, from the files in the resource folder of this package.
 * {@link com.velotra.tv.tavro.tool.view.PageData} writes the data: the bytes of all records, and what the fields mean.
 */
package com.velotra.tv.tavro.tool.view;
