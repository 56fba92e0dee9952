// Points drawn by the graphics card.

import type { PointPainter } from './raster';

const VERTEX = `#version 300 es
in vec3 place;
in vec4 colour;
uniform mat4 matrix;
uniform float pixel;
out vec4 shade;
void main() {
  gl_Position = matrix * vec4(place, 1.0);
  gl_PointSize = colour.a == 0.0 ? 0.0 : pixel;
  if (colour.a == 0.0) gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
  shade = colour;
}`;
const FRAGMENT = `#version 300 es
precision mediump float;
in vec4 shade;
out vec4 result;
void main() { result = shade; }`;

function compiled(gl: WebGL2RenderingContext): WebGLProgram | null {
  const program = gl.createProgram();
  for (const [kind, source] of [
    [gl.VERTEX_SHADER, VERTEX],
    [gl.FRAGMENT_SHADER, FRAGMENT],
  ] as const) {
    const shader = gl.createShader(kind);
    if (!shader) return null;
    gl.shaderSource(shader, source);
    gl.compileShader(shader);
    gl.attachShader(program, shader);
  }
  gl.linkProgram(program);
  return gl.getProgramParameter(program, gl.LINK_STATUS) ? program : null;
}

/** Whether there is a graphics card: one that is imitated by the processor is slower than a loop. */
function isCard(gl: WebGL2RenderingContext): boolean {
  const info = gl.getExtension('WEBGL_debug_renderer_info');
  const name = String(gl.getParameter(info ? info.UNMASKED_RENDERER_WEBGL : gl.RENDERER));
  return !/swiftshader|llvmpipe|software|basic render/i.test(name);
}

/** Null where there is no graphics card, unless any WebGL is wanted. */
export function webglPainter(canvas: HTMLCanvasElement, any: boolean): PointPainter | null {
  const gl = canvas.getContext('webgl2', { antialias: false, preserveDrawingBuffer: true });
  if (!gl || !(any || isCard(gl))) return null;
  const program = compiled(gl);
  if (!program) return null;
  const [places, shades] = [gl.createBuffer(), gl.createBuffer()];
  let [lastPlaces, lastShades]: [Float32Array | null, Uint32Array | null] = [null, null];
  let isLost = false;
  canvas.addEventListener('webglcontextlost', (event) => {
    event.preventDefault();
    isLost = true;
  });
  return {
    draw(size, matrix, positions, colours, pixel) {
      if (isLost || gl.isContextLost()) return;
      if (canvas.width !== size.width || canvas.height !== size.height) {
        [canvas.width, canvas.height] = [size.width, size.height];
      }
      gl.viewport(0, 0, size.width, size.height);
      gl.clearColor(0, 0, 0, 0);
      gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
      gl.enable(gl.DEPTH_TEST);
      gl.depthFunc(gl.LEQUAL);
      gl.useProgram(program);
      const upload = (buffer: WebGLBuffer, data: Float32Array | Uint32Array, isNew: boolean): void => {
        gl.bindBuffer(gl.ARRAY_BUFFER, buffer);
        if (isNew) gl.bufferData(gl.ARRAY_BUFFER, data, gl.DYNAMIC_DRAW);
      };
      upload(places, positions, positions !== lastPlaces);
      gl.enableVertexAttribArray(gl.getAttribLocation(program, 'place'));
      gl.vertexAttribPointer(gl.getAttribLocation(program, 'place'), 3, gl.FLOAT, false, 0, 0);
      upload(shades, colours, colours !== lastShades);
      gl.enableVertexAttribArray(gl.getAttribLocation(program, 'colour'));
      gl.vertexAttribPointer(gl.getAttribLocation(program, 'colour'), 4, gl.UNSIGNED_BYTE, true, 0, 0);
      [lastPlaces, lastShades] = [positions, colours];
      gl.uniformMatrix4fv(gl.getUniformLocation(program, 'matrix'), false, Float32Array.from(matrix));
      gl.uniform1f(gl.getUniformLocation(program, 'pixel'), pixel);
      gl.drawArrays(gl.POINTS, 0, colours.length);
    },
  };
}
