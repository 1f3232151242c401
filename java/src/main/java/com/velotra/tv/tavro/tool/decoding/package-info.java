/** Records for people: decoded values, hexadecimal bytes with what they mean, and JSON with both. */
package com.velotra.tv.tavro.tool.decoding;
